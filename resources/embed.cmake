# Writes OUTPUT: a C++ source that holds the bytes of SCRIPT as the built-in resource script
# and those of IDS as the ids header the script includes, and ICONS as the bitmap it names.
function(talvor_hex_bytes file outBytes outCount)
    file(READ ${file} content HEX)
    string(LENGTH "${content}" hexLength)
    math(EXPR byteCount "${hexLength} / 2")
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${content}")
    string(REGEX REPLACE "(0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,)" "\\1\n" bytes "${bytes}")
    set(${outBytes} "${bytes}" PARENT_SCOPE)
    set(${outCount} ${byteCount} PARENT_SCOPE)
endfunction()

talvor_hex_bytes(${SCRIPT} scriptBytes scriptCount)
talvor_hex_bytes(${IDS} idsBytes idsCount)
talvor_hex_bytes(${ICONS} iconBytes iconCount)
file(WRITE ${OUTPUT}.tmp
"// Made at build time from talvor_res.rc and talvor_res_ids.h; not edited by hand.
#include \"resources/builtin_script.h\"
namespace talvor::resources {
namespace {
const unsigned char ScriptBytes[] = {
${scriptBytes}0x00};
const unsigned char IdsBytes[] = {
${idsBytes}0x00};
const unsigned char IconBytes[] = {
${iconBytes}0x00};
} // namespace
std::string_view BuiltInScript() {
    return std::string_view(reinterpret_cast<const char*>(ScriptBytes), ${scriptCount});
}
std::string_view BuiltInIdsHeader() {
    return std::string_view(reinterpret_cast<const char*>(IdsBytes), ${idsCount});
}
std::string_view BuiltInStandardIcons() {
    return std::string_view(reinterpret_cast<const char*>(IconBytes), ${iconCount});
}
} // namespace talvor::resources
")
file(COPY_FILE ${OUTPUT}.tmp ${OUTPUT} ONLY_IF_DIFFERENT)
file(REMOVE ${OUTPUT}.tmp)
