MODULE Primes;
(* Prints the primes below 100,
   one per line. *)
FROM InOut IMPORT WriteCard, WriteLn;

VAR n, d : CARDINAL;
    prime : BOOLEAN;
BEGIN
  FOR n := 2 TO 99 DO
    prime := TRUE; d := 2;
    WHILE prime AND (d * d <= n) DO
      IF n MOD d = 0 THEN prime := FALSE END;
      INC(d)
    END;
    IF prime THEN WriteCard(n, 4); WriteLn END (* one line each *)
  END
END Primes.
