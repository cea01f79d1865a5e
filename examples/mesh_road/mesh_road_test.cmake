# Runs the example on the part of its own, on small files and on files that are no meshes.
#   PROGRAM, WORK_DIR, STEP
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/../shared/example_test.cmake)

# require_output(<expected> <argument>...): the lines printed, where the size of the file may be any.
function(require_output expected)
  run_well(${ARGN})
  string(REGEX REPLACE "file: [0-9]+ bytes \\([0-9]+% of raw\\)" "file: N" printed "${printed}")
  if(NOT printed STREQUAL expected)
    message(FATAL_ERROR "${ARGN}: printed\n${printed}instead of\n${expected}")
  endif()
endfunction()

# An open box of 10 mm: five sides, as polygons.
set(points "0 0 0\n10 0 0\n10 10 0\n0 10 0\n0 0 10\n10 0 10\n10 10 10\n0 10 10\n")
string(REGEX REPLACE "([^\n]+\n)" "v \\1" obj "${points}")
string(APPEND obj "f 1 4 3 2\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n")
set(ply_head "ply\nformat ascii 1.0\nelement vertex 8\nproperty float x\nproperty float y\nproperty float z\n")
string(APPEND ply_head "element face 5\nproperty list uchar int vertex_indices\nend_header\n")
set(ply_faces "4 0 3 2 1\n4 0 1 5 4\n4 1 2 6 5\n4 2 3 7 6\n4 3 0 4 7\n")
string(REPLACE "2 1\n" "2 99\n" far_faces "${ply_faces}")
set(facet "facet normal 0 0 0\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\n")

if(STEP STREQUAL sample)
  set(lines "nodes: 11040\ntriangles: 22080\ndegenerate: 0\nduplicate: 0\nboundary edges: 0\nfile: N\n")
  require_output("${lines}read back: identical\n")

elseif(STEP STREQUAL small_files)
  set(box "nodes: 8\ntriangles: 10\ndegenerate: 0\nduplicate: 0\nboundary edges: 4\nfile: N\nread back: identical\n")
  file(WRITE ${dir}/box.obj "${obj}")
  require_output("${box}" ${dir}/box.obj ${dir}/box.tqz)
  if(NOT EXISTS ${dir}/box.tqz)
    message(FATAL_ERROR "the compressed file is not where it was asked for")
  endif()
  file(WRITE ${dir}/box.PLY "${ply_head}${points}${ply_faces}")
  require_output("${box}" ${dir}/box.PLY)

  # The same facet twice, the second time from another corner, and one that shrinks to a line.
  set(again "facet normal 0 0 0\nouter loop\nvertex 1 0 0\nvertex 0 1 0\nvertex 0 0 0.00001\nendloop\nendfacet\n")
  set(line "facet normal 0 0 0\nouter loop\nvertex 5 5 5\nvertex 5 5 5\nvertex 0 1 0\nendloop\nendfacet\n")
  file(WRITE ${dir}/facets.stl "solid a\n${facet}${again}${line}endsolid a\n")
  set(expected "nodes: 4\ntriangles: 1\ndegenerate: 1\nduplicate: 1\nboundary edges: 3\nfile: N\nread back: identical\n")
  require_output("${expected}" ${dir}/facets.stl)

elseif(STEP STREQUAL bad_input)
  require_failure("no such file" ${dir}/missing.stl)
  file(MAKE_DIRECTORY ${dir}/folder.stl)
  require_failure("not a file" ${dir}/folder.stl)
  require_failure("usage" a b c)
  file(WRITE ${dir}/good.obj "${obj}")
  require_failure("cannot be opened" ${dir}/good.obj ${dir}/no_such_folder/out.tqz)
  require_failure("overwrite" ${dir}/good.obj ${dir}/good.obj)

  string(REPEAT "head" 20 head)
  set(stl_start "solid a\nfacet normal 0 0 0\nouter loop\nvertex 0 0")
  # File, content, what the message mentions.
  set(cases
      "empty.stl||is empty"
      "notes.txt|a letter|ends neither"
      "notes.stl|a letter|not even the head"
      "binary.stl|${head}AAAA and a bit|announces 1094795585 triangles and holds 0"
      "cut.stl|solid a\n${facet}|endsolid"
      "cut_inside.stl|${stl_start}|line 4"
      "nothing.stl|solid a\nendsolid a\n|no faces"
      "nan.stl|solid a\nfacet normal 0 0 0\nouter loop\nvertex nan 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\nendsolid\n|finite"
      "points.obj|v 0 0 0\nv 1 0 0\n|no faces"
      "cut.obj|${obj}f 1 2|line 14"
      "far.obj|${obj}f 1 2 99\n|no mesh"
      "notes.ply|a letter|begins with"
      "cut_head.ply|ply\nformat ascii 1.0\nelement vertex 8\n|head does not end"
      "cut.ply|${ply_head}${points}4 0 3|fewer values"
      "words.ply|${ply_head}${points}four|no number"
      "far.ply|${ply_head}${points}${far_faces}|face names a point")
  refuse_files("${cases}")

else()
  message(FATAL_ERROR "no step ${STEP}")
endif()
