# Writes a C++ source holding the bytes of INPUT as the array SYMBOL (with SYMBOL_size) in
# namespace talvor::embedded. Run as: cmake -DINPUT=a -DOUTPUT=b -DSYMBOL=c -P embed_binary.cmake
file(READ "${INPUT}" hex HEX)
string(LENGTH "${hex}" hex_length)
math(EXPR size "${hex_length} / 2")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
string(REGEX REPLACE "((0x[0-9a-f][0-9a-f],){16})" "\\1\n    " bytes "${bytes}")
file(WRITE "${OUTPUT}"
"// Generated from ${INPUT}; do not edit.\n#include <cstddef>\n#include <cstdint>\n\n"
"namespace talvor::embedded {\nextern const std::uint8_t ${SYMBOL}[] = {\n    ${bytes}\n};\n"
"extern const std::size_t ${SYMBOL}_size = ${size};\n} // namespace talvor::embedded\n")
