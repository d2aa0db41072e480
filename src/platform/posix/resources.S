// What travels in the Linux program: the files of resources/ whole, under the kinds and numbers
// that resources/torvane.rc gives them on Windows. resources.cpp reads the table row by row: a
// kind and a number of 32 bits each, the address of the bytes and their count; zeros end it.

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
  embed   1, DATA,   "catalogue"
  embed   2, DATA,   "readme.txt"
  embed 105, DATA,   "icons/missing.ico"
  embed 106, DATA,   "icons/find-replace.ico"
  embed 107, DATA,   "icons/host.ico"
  embed 108, DATA,   "icons/command.ico"
  embed 109, DATA,   "icons/ftp.ico"
  embed 101, ICON,   "icons/torvane.ico"
  embed 104, ICON,   "icons/program.ico"
  embed 101, CURSOR, "icons/hand.cur"
  .long 0, 0
  .quad 0, 0

  .section .note.GNU-stack, "", %progbits
