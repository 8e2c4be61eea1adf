-- Counts down and reports the total.
with Ada.Text_IO; use Ada.Text_IO;

procedure Countdown is
   Total : Integer := 0;   -- running sum
   Ratio : constant Float := 1.5E-3;
begin
   for I in reverse 1 .. 10 loop
      Total := Total + I * 2;
      exit when Total > 100;
   end loop;
   if Total mod 3 = 0 and then Ratio < 1.0 then
      Put_Line ("done");
   end if;
end Countdown;
