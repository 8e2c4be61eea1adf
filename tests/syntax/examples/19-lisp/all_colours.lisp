;;; Sum of the squares of a list.
(defun sum-of-squares (numbers)
  "Returns the sum of the squares of NUMBERS."
  (let ((total 0))
    (dolist (n numbers total)   ; walk the list
      (setq total (+ total (* n n))))))

(print (sum-of-squares '(1 2 3 4)))
(if (null nil) (print 42) (print 0))
