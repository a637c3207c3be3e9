# The tests of ei4make. What it reads through a library is tested in builds that have it.
add_unit_tests(ei4make_test
  SOURCES ei4make_dicom_structure_test.cpp ei4make_frame_pixels_test.cpp ei4make_input_kind_test.cpp
          ei4make_isolation_test.cpp ei4make_jpeg_header_test.cpp ei4make_output_file_test.cpp ei4make_picture_test.cpp
          ei4make_preamble_test.cpp ei4make_request_test.cpp ei4make_rle_header_test.cpp ei4make_test.cpp
  LINKS ei4make_parts driver gwav4)
if(EI4_READS_PNG)
  add_unit_tests(ei4make_png_test SOURCES ei4make_png_test.cpp LINKS ei4make_parts PNG::PNG)
else()
  message(STATUS "Not built: the tests of ei4make's PNG")
endif()
if(EI4_READS_DICOM)
  add_unit_tests(ei4make_dicom_test
    SOURCES ei4make_dicom_test.cpp ei4make_dicom_convert_test.cpp ei4make_dicom_hostile_test.cpp
            ei4make_inflate_test.cpp
    LINKS ei4make_parts DCMTK::dcmdata DCMTK::dcmimage DCMTK::dcmjpeg DCMTK::dcmjpls ZLIB::ZLIB)
  target_compile_definitions(ei4make_dicom_test PRIVATE EI4CONVERT_PROGRAM="$<TARGET_FILE:ei4convert>")
  add_dependencies(ei4make_dicom_test ei4convert)
else()
  message(STATUS "Not built: the tests of ei4make's DICOM")
endif()
