# Writes OUTPUT, a C++ source that holds the bytes of INPUT as nimbara::resources::SYMBOL.
file(READ ${INPUT} bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
string(REGEX REPLACE "((0x..,){24})" "\\1\n" bytes "${bytes}")
file(WRITE ${OUTPUT} "#include <string_view>
namespace nimbara::resources {
static unsigned char const bytes[] = {
${bytes}0};
extern std::string_view const ${SYMBOL};
std::string_view const ${SYMBOL}{reinterpret_cast<char const*>(bytes), sizeof bytes - 1};
}  // namespace nimbara::resources
")
