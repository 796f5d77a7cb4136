# SPDX-FileCopyrightText: 2026 The Pixpress authors
# SPDX-License-Identifier: GPL-3.0-or-later

option(PIXPRESS_WERROR "Treat compiler warnings as errors" OFF)

# Some sixty test programs are linked for each of three presets, in half the time with gold. The
# release goes through the usual linker, for which link-time optimisation is tried more.
include(CheckLinkerFlag)
check_linker_flag(CXX -fuse-ld=gold PIXPRESS_HAS_GOLD)
if(PIXPRESS_HAS_GOLD AND CMAKE_BUILD_TYPE STREQUAL "Debug")
    add_link_options(-fuse-ld=gold)
endif()

# What a fault in the release can do is limited: overflows of buffers, of the stack and of the
# standard library's containers end the program, and its tables of functions cannot be overwritten.
# Nothing asks for -fPIE: Qt brings -fPIC, and compilers make programs that can be anywhere in memory
# by themselves. With both the link-time optimiser takes copies of Qt's tables, which Qt forbids, and
# the program ends as it starts.
include(CheckCXXCompilerFlag)
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    check_cxx_compiler_flag(-fcf-protection PIXPRESS_HAS_CF_PROTECTION)
    check_cxx_compiler_flag(-fstack-clash-protection PIXPRESS_HAS_STACK_CLASH_PROTECTION)
    check_linker_flag(CXX LINKER:-z,relro,-z,now,-z,noexecstack PIXPRESS_HAS_RELRO)
    add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3
        $<$<BOOL:${PIXPRESS_HAS_CF_PROTECTION}>:-fcf-protection>
        $<$<BOOL:${PIXPRESS_HAS_STACK_CLASH_PROTECTION}>:-fstack-clash-protection>)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
    if(PIXPRESS_HAS_RELRO)
        add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)
    endif()
endif()

# Language, warnings and definitions, once for every target of ours. QT_NO_KEYWORDS: glib, which is
# under libvips, has a parameter named "signals".
function(pixpress_configure target)
    target_compile_features(${target} PUBLIC cxx_std_23)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion
        -Woverloaded-virtual $<$<BOOL:${PIXPRESS_WERROR}>:-Werror>)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
        QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH QT_NO_KEYWORDS
        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
endfunction()

# A folder of src/ as a static library. Includes are written from src/ ("model/formats.h"), so that
# the compiler finds the headers of every folder: tools/lint-layers has the table of which folder may
# use which, and reads the includes.
function(pixpress_library target)
    add_library(${target} STATIC ${ARGN})
    pixpress_configure(${target})
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
endfunction()

# For a target of the tests: what most of them include was compiled once (tests/support), which takes a
# third of a test's time away. Precompiled headers know the macros that they were compiled with, so
# the folders of QFINDTESTDATA are forgotten, for which no test of ours asks, and all have -pthread,
# as those with libvips do. -fpch-preprocess is what the compiler cache needs to see past them.
function(pixpress_precompiled target)
    target_compile_options(${target} PRIVATE -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR -pthread
        $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
    target_precompile_headers(${target} ${ARGN})
endfunction()

# A QtTest program of one file, which includes what moc makes of it. AUTOMOC would look through it with
# a process of its own and compile a file more, for each of some eighty programs and three presets.
function(pixpress_test_program target source)
    cmake_path(GET source STEM name)
    set(moc ${CMAKE_CURRENT_BINARY_DIR}/${name}.moc)
    qt_generate_moc(${source} ${moc})
    add_executable(${target} ${source} ${moc})
    target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
    pixpress_configure(${target})
    pixpress_precompiled(${target} REUSE_FROM ${PIXPRESS_TEST_HEADERS})
endfunction()

# One such program per topic: tst_TOPIC.cpp, registered with ctest as FOLDER/TOPIC.
function(pixpress_test topic)
    cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME folder)
    set(target tst_${folder}_${topic})
    pixpress_test_program(${target} tst_${topic}.cpp)
    target_link_libraries(${target} PRIVATE Qt6::Test pixpress_test_support ${ARGN})
    add_test(NAME ${folder}/${topic} COMMAND ${target})
    set_tests_properties(${folder}/${topic} PROPERTIES ENVIRONMENT
        "LC_ALL=C.UTF-8;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tools/lsan.supp:print_suppressions=0;TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tools/tsan.supp:die_after_fork=0:ignore_noninstrumented_modules=1")
endfunction()
