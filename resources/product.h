/* Who and what Torvane is, in one place: for the code, the version record, the string table and the
   build files. Preprocessor lines only, since the resource compiler reads it too. */
#pragma once

#define TORVANE_VERSION_MAJOR 1
#define TORVANE_VERSION_MINOR 3
#define TORVANE_VERSION_REVISION 122

#define TORVANE_QUOTE_EXPANDED(text) #text
#define TORVANE_QUOTE(text) TORVANE_QUOTE_EXPANDED(text)
#define TORVANE_VERSION_TEXT \
  TORVANE_QUOTE(TORVANE_VERSION_MAJOR.TORVANE_VERSION_MINOR.TORVANE_VERSION_REVISION)

#define TORVANE_PRODUCT_NAME "Torvane"
#define TORVANE_DESCRIPTION "Edit programs MRU list"
#define TORVANE_COMPANY "Halvex"
#define TORVANE_LEGAL_NOTICE "Copyright Halvex. Provided as is, without warranty of any kind."
#define TORVANE_MAIL "torvane@halvex.example"
#define TORVANE_HOME_PAGE "https://halvex.example/torvane"

#define TORVANE_STRING_1 "Version:"
#define TORVANE_STRING_2 "Programs/MRUs Supported:"
#define TORVANE_STRING_3 "Email:"
#define TORVANE_STRING_4 TORVANE_MAIL
#define TORVANE_STRING_5 "Homepage:"
#define TORVANE_STRING_6 TORVANE_HOME_PAGE
#define TORVANE_STRING_7 "Ok"
#define TORVANE_STRING_8 "Please wait..."
