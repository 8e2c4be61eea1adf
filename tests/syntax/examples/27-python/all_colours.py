# Returns the words of a text that occur more than once.
import collections


def repeated(text, minimum=2):
    """Words seen at least minimum times."""
    counts = collections.Counter(text.lower().split())
    result = [w for w, n in counts.items() if n >= minimum]
    if not result:
        return None  # nothing repeated
    print("found %d" % len(result), 'single quotes are plain')
    return sorted(result)
