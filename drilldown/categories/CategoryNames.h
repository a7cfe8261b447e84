#pragma once
// Number text for category labels.

#include <cstdint>

// Writes a value as a real number through the host's RealToText; a value that is no valid
// number is written "--". Numbers below 1 in size lose one digit when a equals b and flags
// has 0x40, so that they still fit their field. Gives the characters written.
short WriteRealText(double value, unsigned char flags, short a, short b, char* buffer, short c);

// Writes the label of `value` of variable var0 (counted from 0) into buffer at *position and
// moves the position on (a negative position counts as 0). Only whole numbers can have a
// text label or a date format; gives 1 when the text is a text label, else 0.
short WriteCategoryValue(int var0, double value, int16_t* position, char* buffer);
