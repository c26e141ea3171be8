# Target `stage`: assembles the folder that a user gets, build/quenlox, from whatever of it is built. A user's settings and
# lists in that folder stay; skins, licences and the pictures of the guide are replaced whole, so that a file that left them
# leaves the folder too.
set(QUENLOX_STAGE ${PROJECT_SOURCE_DIR}/build/quenlox)
set(product_targets)
foreach(target Quenlox vbmp3 gogo)
  if(TARGET ${target})
    list(APPEND product_targets ${target})
    install(TARGETS ${target} RUNTIME DESTINATION . COMPONENT product LIBRARY DESTINATION . COMPONENT product
            ARCHIVE DESTINATION . COMPONENT development EXCLUDE_FROM_ALL)
  endif()
endforeach()

file(GLOB packages CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/skins skins/*/package)
foreach(package ${packages})
  get_filename_component(skin ${package} DIRECTORY)
  install(DIRECTORY skins/${package}/ DESTINATION skin/${skin} COMPONENT product)
endforeach()
install(FILES docs/skins.md DESTINATION skin COMPONENT product)
install(FILES packaging/help/Quenlox.html DESTINATION . COMPONENT product)
install(DIRECTORY docs/pictures/ DESTINATION help COMPONENT product)
install(FILES LICENSE THIRD-PARTY.md DESTINATION licences COMPONENT product)
install(DIRECTORY ${QUENLOX_DEPS}/licences/ DESTINATION licences COMPONENT product)

add_custom_target(stage
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${QUENLOX_STAGE}/skin ${QUENLOX_STAGE}/licences ${QUENLOX_STAGE}/help
  COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${QUENLOX_EPOCH} ${CMAKE_COMMAND} --install ${CMAKE_BINARY_DIR} --prefix ${QUENLOX_STAGE} --component product --strip
          > ${CMAKE_BINARY_DIR}/stage.log
  COMMENT "Assembling ${QUENLOX_STAGE}" VERBATIM)
if(product_targets)
  add_dependencies(stage ${product_targets})
endif()
