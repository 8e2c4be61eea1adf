-- A counter that wraps at 255.
library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity counter is
  port (clk   : in  std_logic;
        reset : in  std_logic;
        value : out unsigned(7 downto 0));
end entity counter;

architecture rtl of counter is
  signal count : unsigned(7 downto 0) := (others => '0');
begin
  process (clk)
  begin
    if rising_edge(clk) then
      if reset = '1' then count <= (others => '0');  -- synchronous reset
      else count <= count + 1;
      end if;
    end if;
  end process;
  value <= count;
end architecture rtl;
