<?php
// Returns the initials of a full name.
function initials($name)
{
    $result = '';
    /* split at blanks,
       keep the first letters */
    foreach (explode(' ', $name) as $part) {
        if (strlen($part) > 0) {
            $result .= strtoupper($part[0]);
        }
    }
    return $result; # done
}
echo initials("Ada Lovelace"), 42;
