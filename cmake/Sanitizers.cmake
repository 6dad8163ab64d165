# Applies DESKBOOK_SANITIZE to everything that is built; a finding ends the program.
if(DESKBOOK_SANITIZE)
  add_compile_options(-fsanitize=${DESKBOOK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${DESKBOOK_SANITIZE})
endif()
