# Joins the page's ES modules into the one classic script the page loads
# (playground.js): a browser refuses module scripts from file://, and the
# page opens from disk. The modules keep to a form this can join without a
# parser, and anything else stops the build:
#   import {a, b} from './name.mjs';   on one line, no renaming: dropped
#   export function|const|let|class    at the start of a line: "export " dropped
# Every top-level name must be unique across the modules, since they share
# one scope here. The modules come in dependency order.
#
#   cmake -DOUTPUT=playground.js -DSOURCES="a.mjs|b.mjs" -P join.cmake
cmake_minimum_required(VERSION 3.16)
string(REPLACE "|" ";" sources "${SOURCES}")
set(joined "// Made from web/src/*.mjs by web/join.cmake; edit those.\n(() => {\n'use strict';\n")
set(names)
foreach(source ${sources})
  get_filename_component(name "${source}" NAME)
  file(READ "${source}" text)
  set(text "\n${text}")
  if(text MATCHES "\nimport [^\n]* as ")
    message(FATAL_ERROR "${name}: renamed imports cannot be joined")
  endif()
  string(REGEX REPLACE "\nimport {[^}\n]*} from '\\./[a-z]+\\.mjs';" "" text "${text}")
  string(REGEX REPLACE "\nexport (function|const|let|class|async function) " "\n\\1 " text "${text}")
  if(text MATCHES "\n(import|export)[ {*]")
    message(FATAL_ERROR "${name}: an import or export this script cannot join (see web/join.cmake)")
  endif()
  string(REGEX MATCHALL "\n(function|const|let|class|async function) [A-Za-z0-9_$]+" declared "${text}")
  foreach(declaration ${declared})
    string(REGEX REPLACE ".* " "" declaration "${declaration}")
    if(declaration IN_LIST names)
      message(FATAL_ERROR "${name}: '${declaration}' is declared by another module too")
    endif()
    list(APPEND names ${declaration})
  endforeach()
  string(APPEND joined "\n// --- ${name}${text}")
endforeach()
string(APPEND joined "})();\n")
file(WRITE "${OUTPUT}" "${joined}")
