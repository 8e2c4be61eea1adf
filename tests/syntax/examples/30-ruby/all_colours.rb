# Greets everybody in a list.
class Greeter
  def initialize(names)
    @names = names
  end

=begin
A block comment in Ruby
starts and ends at the line start.
=end
  def greet_all
    @names.each { |name| puts "Hello, #{name}!" }  # one line each
    @names.size * 1
  end
end

Greeter.new(%w[Ann Bob]).greet_all if __FILE__ == $0
