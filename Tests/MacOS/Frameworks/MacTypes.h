#pragma once

// The basic types of the Mac's C interfaces. The global Point, Rect and Size are of no use to anybody here;
// they stand here because they do so on a Mac, where an unqualified use outside namespace tarvex would pick
// them up.

#include <stdint.h>

typedef unsigned char UInt8;
typedef signed char SInt8;
typedef unsigned short UInt16;
typedef signed short SInt16;
typedef unsigned int UInt32;
typedef signed int SInt32;
typedef unsigned long long UInt64;
typedef signed long long SInt64;

typedef unsigned char Boolean;
typedef UInt16 UniChar;
typedef unsigned long UniCharCount;
typedef SInt32 OSStatus;
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
typedef UInt32 OptionBits;
typedef unsigned long ItemCount;
typedef unsigned long ByteCount;
typedef long Size;

struct Point {
    short v;
    short h;
};

struct Rect {
    short top;
    short left;
    short bottom;
    short right;
};

enum { noErr = 0 };
