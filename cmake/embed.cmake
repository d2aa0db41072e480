# Puts the files of resources/ into a program: torvane_embed_resources(target). On Linux the target
# is the library whose code reads them and the assembler puts them in; on Windows it is each
# executable, since a resource section isn't pulled out of a library.
if(NOT WIN32)
  enable_language(ASM)
endif()

function(torvane_embed_resources target)
  set(folder ${CMAKE_SOURCE_DIR}/resources)
  set(numbers ${CMAKE_SOURCE_DIR}/src/platform/resource_numbers.h)
  if(WIN32)
    set(table ${folder}/torvane.rc)
    set(also ${numbers} ${folder}/product.h ${folder}/torvane.exe.manifest)
    set_source_files_properties(${table} PROPERTIES
      INCLUDE_DIRECTORIES "${folder};${CMAKE_SOURCE_DIR}/src")
  else()
    set(table ${CMAKE_SOURCE_DIR}/src/platform/posix/resources.S)
    set(also ${numbers})
    target_include_directories(${target} PRIVATE ${folder})
  endif()
  # Neither table's compiler tells the build what it read, so a changed picture is named here.
  file(GLOB pictures CONFIGURE_DEPENDS ${folder}/icons/*.ico ${folder}/icons/*.cur)
  set_source_files_properties(${table} PROPERTIES
    OBJECT_DEPENDS "${folder}/catalogue;${folder}/readme.txt;${pictures};${also}")
  target_sources(${target} PRIVATE ${table})
endfunction()
