# Applies DESKBOOK_SANITIZE to everything that is built; a finding ends the program.
if(DESKBOOK_SANITIZE)
  add_compile_options(-fsanitize=${DESKBOOK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${DESKBOOK_SANITIZE})
  # Else a program relocates millions of the sanitizers' own records at each start.
  add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-no-pie>)
endif()
