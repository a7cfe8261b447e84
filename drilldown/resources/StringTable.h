#pragma once
// The module's string table: every text the user sees, numbered 10000 to 10060.
// Texts are UTF-8 and keep their trailing blanks, line breaks and printf directives.

// Text of string `id`; an empty string for a number the table does not hold.
const char* ModuleString(int id);

// The numbers the table holds, ascending.
int ModuleStringCount();
int ModuleStringIdAt(int index);
