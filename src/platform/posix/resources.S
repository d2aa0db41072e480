// What travels in the Linux program: the files of resources/ whole, under the kinds and numbers
// that resources/torvane.rc gives them on Windows. resources.cpp reads the table row by row: a
// kind and a number of 32 bits each, the address of the bytes and their count; zeros end it.

#include "platform/resource_numbers.h"

#define DATA 1
#define ICON 2
#define CURSOR 3

.macro embed id, kind, file
  .pushsection .rodata.torvane, "a", %progbits
  .balign 16
.Lbytes\@:
  .incbin "\file"
.Lend\@:
  .popsection
  .long \kind, \id
  .quad .Lbytes\@, .Lend\@ - .Lbytes\@
.endm

  .section .data.rel.ro.torvane, "aw", %progbits
  .balign 8
  .globl torvane_embedded_resources
  .hidden torvane_embedded_resources
torvane_embedded_resources:
  embed TORVANE_CATALOGUE,         DATA,   "catalogue"
  embed TORVANE_README,            DATA,   "readme.txt"
  embed TORVANE_MISSING_FILE_ICON, DATA,   "icons/missing.ico"
  embed TORVANE_FIND_REPLACE_ICON, DATA,   "icons/find-replace.ico"
  embed TORVANE_HOST_ICON,         DATA,   "icons/host.ico"
  embed TORVANE_COMMAND_ICON,      DATA,   "icons/command.ico"
  embed TORVANE_FTP_ICON,          DATA,   "icons/ftp.ico"
  embed TORVANE_APPLICATION_ICON,  ICON,   "icons/torvane.ico"
  embed TORVANE_PROGRAM_ICON,      ICON,   "icons/program.ico"
  embed TORVANE_HAND_CURSOR,       CURSOR, "icons/hand.cur"
  .long 0, 0
  .quad 0, 0

  .section .note.GNU-stack, "", %progbits
