# Headless modules (everything but the GUI modules: the library, the engine, the functions,
# orvane-cli ...) must run where there is no display, so none of them may reach QtWidgets, not
# even through a module it links. The check walks each headless target's link dependencies once
# the whole tree is configured and stops the configure step with the path that reaches it.
#
# Headless targets: every orvane_module() without GUI, plus what is registered with
# orvane_headless_target() (object libraries and programs that are not modules).

function(orvane_headless_target)
  set_property(GLOBAL APPEND PROPERTY ORVANE_HEADLESS_TARGETS ${ARGN})
endfunction()

# The names a target links, as written (with $<LINK_ONLY:...> unwrapped, other generator
# expressions dropped).
function(_orvane_link_names target out)
  set(names "")
  get_target_property(type ${target} TYPE)
  set(properties INTERFACE_LINK_LIBRARIES)
  get_target_property(imported ${target} IMPORTED)
  if(NOT imported AND NOT type STREQUAL "INTERFACE_LIBRARY")
    list(APPEND properties LINK_LIBRARIES)
  endif()
  foreach(property IN LISTS properties)
    get_target_property(libraries ${target} ${property})
    if(NOT libraries)
      continue()
    endif()
    foreach(library IN LISTS libraries)
      if(library MATCHES "^\\$<LINK_ONLY:([^>]+)>$")
        set(library ${CMAKE_MATCH_1})
      elseif(library MATCHES "^\\$<")
        continue()
      endif()
      if(library MATCHES "^::@")   # a directory marker CMake inserts for out-of-folder links
        continue()
      endif()
      list(APPEND names ${library})
    endforeach()
  endforeach()
  list(REMOVE_DUPLICATES names)
  set(${out} ${names} PARENT_SCOPE)
endfunction()

# Sets out to the chain "target -> ... -> forbidden" by which target reaches one of the
# forbidden targets, or to an empty text when it reaches none.
function(orvane_forbidden_link_path target forbidden out)
  set(queue ${target})
  set(seen ${target})
  set(path_${target} ${target})
  while(queue)
    list(POP_FRONT queue current)
    _orvane_link_names(${current} names)
    foreach(name IN LISTS names)
      if(name IN_LIST seen)
        continue()
      endif()
      list(APPEND seen ${name})
      set(path_${name} "${path_${current}} -> ${name}")
      if(name IN_LIST forbidden)
        set(${out} "${path_${name}}" PARENT_SCOPE)
        return()
      endif()
      if(TARGET ${name})
        list(APPEND queue ${name})
      endif()
    endforeach()
  endwhile()
  set(${out} "" PARENT_SCOPE)
endfunction()

function(orvane_check_headless_targets)
  get_property(targets GLOBAL PROPERTY ORVANE_HEADLESS_TARGETS)
  set(failures "")
  foreach(target IN LISTS targets)
    orvane_forbidden_link_path(${target} "Qt6::Widgets;Qt::Widgets" path)
    if(path)
      string(APPEND failures "\n  ${path}")
    endif()
  endforeach()
  if(failures)
    message(FATAL_ERROR "Headless modules link QtWidgets:${failures}\n"
      "Move the widget code into a GUI module (orvane_module(... GUI ...)), or make the module "
      "depend on an interface that a GUI module implements.")
  endif()
endfunction()

# Runs once the top-level CMakeLists.txt has been read, when every target and link is known.
cmake_language(DEFER DIRECTORY ${CMAKE_SOURCE_DIR} CALL orvane_check_headless_targets)
