# What a release is called besides its number, which stands in project() alone: its date, from the changelog's top entry
# ("## 1.2.3 - 2026-01-31"). A test checks that this entry names the project's version.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/CHANGELOG.md")
file(STRINGS "${PROJECT_SOURCE_DIR}/CHANGELOG.md" headings REGEX "^## ")
string(REGEX MATCH "[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]" EI4_RELEASE_DATE "${headings}")  # the first one
