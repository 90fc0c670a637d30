# Writes OUTPUT, a source that embeds the bytes of INPUT between SYMBOL_begin and SYMBOL_end. Their hash makes it another
# source for other bytes: a compiler's cache that knows files by what a source includes does not look into .incbin.
file(SHA256 ${INPUT} hash)
file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT [[
// @hash@
__asm__(R"(
  .section .rodata
  .balign 64
  .globl @SYMBOL@_begin
  .globl @SYMBOL@_end
@SYMBOL@_begin:
  .incbin "@INPUT@"
@SYMBOL@_end:
  .byte 0
  .previous
)");
]])
# As new as the bytes, also where these have been made again as they were.
file(TOUCH ${OUTPUT})
