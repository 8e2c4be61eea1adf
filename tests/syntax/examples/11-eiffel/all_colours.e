note
	description: "A counter that never goes below zero."

class
	COUNTER

feature -- Access

	count: INTEGER
			-- Current value

	decrement
			-- Lower the value by one, down to zero.
		require
			positive: count > 0
		do
			count := count - 1
		ensure
			lowered: count = old count - 1
		end

end
