# Writes OUTPUT, a C++ source that holds the text of the JSON file INPUT.
file(READ "${INPUT}" model_text)
get_filename_component(model_name "${INPUT}" NAME)
file(WRITE "${OUTPUT}"
     "// Generated from ${model_name}; do not edit.\n"
     "#include \"model.h\"\n\n"
     "namespace ksvsim::detail {\n\n"
     "const char kBuiltInModelJson[] = R\"ksvmodel(${model_text})ksvmodel\";\n\n"
     "} // namespace ksvsim::detail\n")
