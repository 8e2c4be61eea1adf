implement Echo;

include "sys.m";
	sys: Sys;

Echo: module
{
	init: fn(nil: ref Draw->Context, args: list of string);
};

# Prints the arguments, one blank apart.
init(nil: ref Draw->Context, args: list of string)
{
	sys = load Sys Sys->PATH;
	for(args = tl args; args != nil; args = tl args)
		sys->print("%s ", hd args);
	sys->print("\n");	# end of line
	exit;
}
