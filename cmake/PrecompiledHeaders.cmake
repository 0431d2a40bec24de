# Qt's own headers take most of the time of a build. With DATAEXPORT_PCH they are compiled once for
# each way in which targets are compiled, and shared. The preset "ci" builds without, so that every
# file is seen to include what it uses.
option(DATAEXPORT_PCH "Compile Qt's headers once for all targets" ON)

# dataexport_share_headers(target CARRIER): CARRIER is made on the first call and names the set:
#   qt_headers_library   hidden symbols: the library and the reader
#   qt_headers_program   programs, sample and benchmarks
#   qt_headers_test      tests
function(dataexport_share_headers target carrier)
    if(NOT DATAEXPORT_PCH)
        return()
    endif()
    if(NOT TARGET ${carrier})
        file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/${carrier}.cpp CONTENT "")
        add_library(${carrier} OBJECT ${PROJECT_BINARY_DIR}/${carrier}.cpp)
        target_link_libraries(${carrier} PRIVATE Qt6::Core dataexport_warnings)
        if(carrier STREQUAL "qt_headers_test")
            # All that <QtTest> draws in but its own headers, which depend on the test's folder.
            target_precompile_headers(${carrier} PRIVATE <QtCore>)
        else()
            target_precompile_headers(${carrier} PRIVATE
                <QByteArray> <QDateTime> <QDir> <QFile> <QFileInfo> <QHash> <QList> <QMap> <QSet>
                <QString> <QStringList> <QUrl> <QVariant>
                <algorithm> <functional> <memory> <optional> <vector>)
        endif()
        if(carrier STREQUAL "qt_headers_library")
            set_target_properties(${carrier} PROPERTIES
                CXX_VISIBILITY_PRESET hidden
                VISIBILITY_INLINES_HIDDEN ON)
        endif()
    endif()
    target_precompile_headers(${target} REUSE_FROM ${carrier})
endfunction()
