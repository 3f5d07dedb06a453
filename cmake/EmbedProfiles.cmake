# Writes every profile of FOLDER into one source file, OUTPUT, as raw strings.
file(GLOB files ${FOLDER}/*.toml)
list(SORT files)
set(rows "")
foreach(file IN LISTS files)
  get_filename_component(name ${file} NAME_WE)
  file(READ ${file} text)
  string(APPEND rows "    {\"${name}\", R\"kxtoml(${text})kxtoml\"},\n")
endforeach()
file(
  WRITE ${OUTPUT}
  "#include <profile/BuiltInProfiles.h>\n\nnamespace kxsim {\n\n"
  "const BuiltInProfile kBuiltInProfiles[] = {\n${rows}    {nullptr, nullptr},\n};\n\n"
  "}  // namespace kxsim\n")
