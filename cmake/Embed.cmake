# Writes a C++ file that defines an asset of src/report/assets.h from a file:
#   cmake -DNAME=REPORT_CSS -DFILE=report.css -DOUT=report.css.cpp -P Embed.cmake
# The text must be plain UTF-8 with line feeds and without the closing delimiter.
file(READ "${FILE}" text)
file(SHA256 "${FILE}" hash)
string(FIND "${text}" ")embedded\"" end)
if(NOT end EQUAL -1)
  message(FATAL_ERROR "${FILE} holds the delimiter of its literal")
endif()
string(FIND "${text}" "</script" end)
if(NOT end EQUAL -1)
  message(FATAL_ERROR "${FILE} would end its script element")
endif()
file(WRITE "${OUT}" "#include \"report/assets.h\"\n\nnamespace zelvo::report {\n\n"
     "const Asset ${NAME} = {R\"embedded(${text})embedded\", \"${hash}\"};\n\n}\n")
