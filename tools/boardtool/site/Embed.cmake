# Writes a C++ source that holds each file given as a character array, so
# that boardtool carries the catalog site's style and script in itself:
#   cmake -DOUTPUT=SiteAssets.cpp -DFILES=a.css|b.js -DNAMES=kSiteCss|kSiteJs -P Embed.cmake
# Bytes rather than a raw string literal, so no text in the files can end it.
set(text "// Made by Embed.cmake from the files in tools/boardtool/site; edit those.\n")
string(APPEND text "#include \"SiteAssets.h\"\n\nnamespace boardtool {\n")
string(REPLACE "|" ";" FILES "${FILES}")
string(REPLACE "|" ";" NAMES "${NAMES}")
# Sixteen bytes a line.
string(REPEAT "'[^']+'," 16 line)
list(LENGTH FILES count)
math(EXPR last "${count} - 1")
foreach(i RANGE ${last})
  list(GET FILES ${i} file)
  list(GET NAMES ${i} name)
  file(READ ${file} hex HEX)
  # As '\xNN' character literals: a byte of 0x80 or more is no narrowing
  # to char then, so the files may hold any UTF-8 text.
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")
  string(REGEX REPLACE "(${line})" "\\1\n" bytes "${bytes}")
  string(APPEND text "const char ${name}[] = {\n${bytes}'\\0'};\n")
endforeach()
string(APPEND text "} // namespace boardtool\n")
file(WRITE ${OUTPUT}.new "${text}")
execute_process(COMMAND ${CMAKE_COMMAND} -E copy_if_different ${OUTPUT}.new ${OUTPUT})
file(REMOVE ${OUTPUT}.new)
