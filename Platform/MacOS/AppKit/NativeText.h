#pragma once

#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <Foundation/Foundation.h>
#include <string>
#include <string_view>

namespace tarvex {

/// The text, which should be UTF-8, as a string object; never nil. Bytes that are no UTF-8 count as Latin-1.
[[nodiscard]] ObjCHandle<NSString*> makeString(std::string_view text);

/// The string as UTF-8; what has no place in it is replaced. Empty for nil.
[[nodiscard]] std::string utf8Of(NSString* string);

} // namespace tarvex
