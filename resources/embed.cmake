# Writes OUTPUT: a C++ source that holds the bytes of INPUT as the built-in resource script.
file(READ ${INPUT} content HEX)
string(LENGTH "${content}" hexLength)
math(EXPR byteCount "${hexLength} / 2")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${content}")
string(REGEX REPLACE "(0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,)" "\\1\n" bytes "${bytes}")
file(WRITE ${OUTPUT}.tmp
"// Made at build time from talvor_res.rc; not edited by hand.
#include \"resources/builtin_script.h\"
namespace talvor::resources {
namespace {
const unsigned char Bytes[] = {
${bytes}0x00};
} // namespace
std::string_view BuiltInScript() {
    return std::string_view(reinterpret_cast<const char*>(Bytes), ${byteCount});
}
} // namespace talvor::resources
")
file(COPY_FILE ${OUTPUT}.tmp ${OUTPUT} ONLY_IF_DIFFERENT)
file(REMOVE ${OUTPUT}.tmp)
