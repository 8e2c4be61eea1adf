/* REXX: prints the factorial of a number */
parse arg n
if n = '' then n = 10
result = 1
do i = 2 to n
  result = result * i   /* grows fast */
end
say 'Factorial of' n 'is' result
/* a comment
   over two lines */
exit 0
