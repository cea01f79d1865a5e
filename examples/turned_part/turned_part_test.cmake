# Runs the example on the program of its own, on small programs and on files that are no programs.
#   PROGRAM, WORK_DIR, STEP
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/../shared/example_test.cmake)

# figures_of(<variable> <program text>): "lines arcs diameter length" of the part, which has to be closed, unfolded as a
# whole and the same when it is read back.
function(figures_of variable text)
  file(WRITE ${dir}/program.nc "${text}")
  run_well(${dir}/program.nc)
  set(number "([0-9.]+)")
  string(REGEX MATCH "contour: ${number} lines, ${number} arcs\n" matched "${printed}")
  set(figures "${CMAKE_MATCH_1} ${CMAKE_MATCH_2}")
  string(REGEX MATCH "size: diameter ${number}, length ${number}\n" matched "${printed}")
  string(APPEND figures " ${CMAKE_MATCH_1} ${CMAKE_MATCH_2}")
  if(NOT printed MATCHES "boundary edges: 0\nread back: identical\nunfolded: ([0-9]+) of ([0-9]+) triangles\n"
     OR NOT CMAKE_MATCH_1 EQUAL CMAKE_MATCH_2)
    message(FATAL_ERROR "not a sound part:\n${text}\n${printed}")
  endif()
  set(${variable} "${figures}" PARENT_SCOPE)
endfunction()

if(STEP STREQUAL sample)
  run_well()
  set(figures "^program: O1, 45 lines\ncontour: 10 lines, 6 arcs\nprofile: [0-9]+ nodes\n"
              "size: diameter 49.000, length 91.000\nnodes: [0-9]+\ntriangles: [0-9]+\nboundary edges: 0\n"
              "read back: identical\nunfolded: ([0-9]+) of ([0-9]+) triangles\n"
              "pictures: out/part.png, out/contour.svg, out/unfolded.svg\n$")
  string(JOIN "" figures ${figures})
  if(NOT printed MATCHES "${figures}" OR NOT CMAKE_MATCH_1 EQUAL CMAKE_MATCH_2)
    message(FATAL_ERROR "printed\n${printed}instead of\n${figures}")
  endif()

  file(READ ${dir}/out/part.png head LIMIT 8 HEX)
  file(SIZE ${dir}/out/part.png size)
  if(NOT head STREQUAL "89504e470d0a1a0a" OR size LESS 20000)
    message(FATAL_ERROR "no picture: ${size} bytes that begin with ${head}")
  endif()
  # The radius, and the side to which the arc bends: 1 for the three of G2, 0 for the three of G3.
  file(READ ${dir}/out/contour.svg svg)
  foreach(flag 0 1)
    string(REGEX MATCHALL "A[0-9.]+ [0-9.]+ 0 [01] ${flag} " arcs "${svg}")
    list(LENGTH arcs count)
    if(NOT count EQUAL 3)
      message(FATAL_ERROR "${count} arcs with the flag ${flag} on the contour instead of 3")
    endif()
  endforeach()
  foreach(file part.tqz part.txt part.db unfolded.svg)
    file(SIZE ${dir}/out/${file} size)
    if(size LESS 100000)
      message(FATAL_ERROR "${file} has only ${size} bytes")
    endif()
  endforeach()

elseif(STEP STREQUAL small_programs)
  # Program, "lines arcs diameter length".
  set(cases
      # A ball: an arc of half a turn, by its centre and by its radius.
      "G0 X0 Z10\nG3 X0 Z-10 K-10|0 1 20.000 20.000"
      "G0 X0 Z10\nG3 Z-10 R10|0 1 20.000 20.000"
      # Down to a neck, either way of the cut; less and more than half a turn between the same ends.
      "G0 X0 Z10\nG3 X6 Z-8 K-10|0 1 20.000 18.000"
      "G0 X0 Z8\nG3 X6 Z-10 R10|0 1 20.000 18.000"
      "G0 X0 Z8\nG3 X6 Z-10 R-10|0 1 32.000 20.000"
      "G0 X6 Z-8\nG2 X0 Z10 I-6 K8|0 1 20.000 18.000"
      # The same ends: G2 bends inwards, G3 outwards.
      "G0 X10 Z0\nG2 Z-12 I8 K-6|0 1 20.000 12.000"
      "G0 X10 Z0\nG3 Z-12 I-8 K-6|0 1 24.000 12.000"
      # A lens on the end of a rod: its arc lies where the angles of the library are coarse.
      "G0 X0 Z0\nG3 X14 Z-.098 R1000\nG1 Z-5|1 1 28.000 5.000"
      # Modal words, numbers of lines, comments, blanks, small letters; a diameter and back.
      "%\nO77 (rod)\nN10 G21 G18 G7\n\n  n20 g0x20z0 s1000 M3(cut)\n/N30 G01 z-5. F.1\nN40G8X+8\nM30\nG5|2 0 20.000 5.000"
      # The last run is the contour; G4 X and G92 S do not move; what follows M2 is not read.
      "G0 X9 Z0\nG1 Z-9\nG0 X5 Z0\nG92 S2000\nG1 Z-2\nG4 X3\nZ-4\nM2\nG1 X99|2 0 10.000 4.000"
      # Steps, inches, a renamed position.
      "G0 X5 Z0\nG91 G1 Z-2\nX1\nG90 W-1 U-1.5|3 0 12.000 3.000"
      "G20 G0 X.5 Z0\nG1 Z-1|1 0 25.400 25.400"
      "G0 X5 Z0\nG92 X6\nG1 Z-2|1 0 12.000 2.000"
      # What goes beyond the axis or along it is no part of the surface.
      "G0 X-1 Z0\nG1 X10\nZ-10\nX-1|3 0 20.000 10.000"
      "G0 X0 Z5\nG1 Z0\nX10\nZ-10\nX0\nZ-12|5 0 20.000 10.000")
  foreach(case IN LISTS cases)
    string(REGEX MATCH "^([^|]*)\\|([^|]*)$" matched "${case}")
    set(expected "${CMAKE_MATCH_2}")
    figures_of(figures "${CMAKE_MATCH_1}")
    if(NOT figures STREQUAL expected)
      message(FATAL_ERROR "${case}\ngives ${figures}")
    endif()
  endforeach()

  # A finer tolerance makes more nodes.
  run_well(${dir}/program.nc ${dir}/deep/folder 0.001)
  if(NOT EXISTS ${dir}/deep/folder/part.png)
    message(FATAL_ERROR "the picture is not where it was asked for")
  endif()

elseif(STEP STREQUAL bad_input)
  require_failure("no such file" ${dir}/missing.nc)
  require_failure("not a file" ${dir})
  require_failure("usage" a b c d)
  file(WRITE ${dir}/good.nc "G0 X5 Z0\nG1 Z-5\n")
  require_failure("number of millimetres" ${dir}/good.nc ${dir}/out 0)
  require_failure("cannot be made" ${dir}/good.nc ${dir}/good.nc/out)
  file(WRITE ${dir}/part.txt "G0 X5 Z0\nG1 Z-5\n")
  require_failure("overwrite" ${dir}/part.txt ${dir})

  set(start "G18 G8\nG0 X5 Z0\n")
  # File, content, what the message mentions.
  set(cases
      "empty.nc||is empty"
      "no_cuts.nc|${start}G0 X9\n|line 3: .*without a cutting move"
      "letters.nc|a letter|line 1: A stands without a number"
      "number.nc|${start}G1 X1.2.3\n|line 3: \"1.2.3\" behind X is no number"
      "point.nc|${start}G1 X.\n|line 3: .*is no number"
      "minus.nc|${start}G1 X--1\n|line 3: .*is no number"
      "nan.nc|${start}G1 Xnan\n|line 3: X stands without"
      "huge.nc|${start}G1 X1000000\n|line 3: a length beyond"
      "expression.nc|${start}G1 X#1\n|line 3: X stands without"
      "sign.nc|${start}\n\nG1 X=4\n|line 5: X stands without"
      "comment.nc|${start}(does not end\n|line 3: the comment"
      "twice.nc|${start}G1 X1 X2\n|line 3: X stands twice"
      "cycle.nc|O12\n${start}G76 X1\n|line 4: .*G76"
      "probe.nc|${start}G38.2 X1\n|line 3: .*G38.2"
      "code.nc|${start}G1.55\n|line 3: unknown G word"
      "call.nc|${start}M98 P100\n|line 3: M98"
      "no_motion.nc|G8\r\nX5 Z0\r\n|line 2: X stands before any"
      "off.nc|${start}G3 X9 Z-4 K-4.1\n|line 3: .*0.099 mm off its circle"
      "reach.nc|${start}G3 X9 Z-4 R2\n|line 3: .*out of reach"
      "no_centre.nc|${start}G3 X9 Z-4\n|line 3: an arc needs"
      "no_radius.nc|${start}G3 X9 Z-4 K0\n|line 3: the arc has no radius"
      "plane.nc|${start}G17 G3 X9 Z-4 K-4\n|line 3: .*G18"
      "third_axis.nc|${start}G1 Y1 X2\n|line 3: Y leads out"
      "unknown_place.nc|${start}G28 U0 W0\nG1 Z-4\n|line 4: a cut from a position"
      "touch.nc|${start}G1 X0 Z-5\nX5 Z-9\n|line 3: the contour meets the axis"
      "wrong_side.nc|G0 X-5 Z0\nG1 Z-5\n|line 2: no part of the contour"
      "flat.nc|G0 X5 Z0\nG1 X0\n|line 2: the contour encloses nothing")
  refuse_files("${cases}")

else()
  message(FATAL_ERROR "no step ${STEP}")
endif()
