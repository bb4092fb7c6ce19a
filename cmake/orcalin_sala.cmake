# A room of the application: a static library "orcalin_NAME" of the sources in
# a folder of that name, or in this one. Whoever links it includes its headers as
# "NAME/header.h", and whoever does not, cannot: the only way to them is a folder
# of the build tree that holds nothing but this room.
function(orcalin_sala nombre)
    add_library(orcalin_${nombre} STATIC)
    set(carpeta ${CMAKE_CURRENT_SOURCE_DIR})
    if(IS_DIRECTORY ${carpeta}/${nombre})
        string(APPEND carpeta /${nombre})
    endif()
    list(TRANSFORM ARGN PREPEND ${carpeta}/)
    target_sources(orcalin_${nombre} PRIVATE ${ARGN})
    set(puerta ${PROJECT_BINARY_DIR}/app/puertas/${nombre})
    file(MAKE_DIRECTORY ${puerta})
    file(CREATE_LINK ${carpeta} ${puerta}/${nombre} SYMBOLIC)
    target_include_directories(orcalin_${nombre} PUBLIC ${puerta})
    target_link_libraries(orcalin_${nombre} PUBLIC Qt6::Core PRIVATE orcalin_opciones)
endfunction()
