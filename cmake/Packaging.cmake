# The Debian package that scripts/package.sh builds with CPack.

# The SQLite extension the program loads at run time, once it is built here.
if(TARGET quorvale_sqlite)
  install(TARGETS quorvale_sqlite
          LIBRARY DESTINATION ${QUORVALE_INSTALL_LIBDIR}
          RUNTIME DESTINATION ${QUORVALE_INSTALL_LIBDIR})
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorvale)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${QUORVALE_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "property-management reports and their export to Excel workbooks")
# CPack puts the summary first and indents these lines itself.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Quorvale is the reporting tool of a property-management company. Staff sign
in, choose one of six reports (customer master data, arrears and advance
receipts, for properties and for parking spaces), a management office and a
period, and see the rows in a grid. Chosen columns are exported to a sheet of
an Excel workbook, and the grid is printed or saved as PDF.

The reports read the company's SQL Server database through ODBC, or an
embedded demo database. quorvale-admin writes the database settings, creates
the demo database and exports reports without the desktop program.")
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${QUORVALE_HOMEPAGE})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Libraries the binaries link come from dpkg-shlibdeps; Qt loads the SQL
# drivers, finds the fonts with Chinese glyphs and loads its own Chinese
# texts (dialog buttons, file and print dialogs) at run time.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "libqt6sql6-sqlite, libqt6sql6-odbc, fonts-wqy-microhei | fonts-noto-cjk, qt6-translations-l10n")
# The SQL Server path: unixODBC and the FreeTDS driver.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "unixodbc, tdsodbc")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_STRIP_FILES ON)
# The package installs where the build's manual pages say it does.
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
include(CPack)
