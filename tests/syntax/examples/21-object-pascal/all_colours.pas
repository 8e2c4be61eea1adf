unit Greeting;

{ Builds a greeting for a name. }
interface

function Greet(const Name: string): string;

implementation

(* Empty names get a default
   text. *)
function Greet(const Name: string): string;
begin
  if Name = '' then
    Result := 'Hello, world'   // default
  else
    Result := 'Hello, ' + Name + '''s friend';
  Result := Result + [#33];
  Tag := $FF + 10;
end;

end.
