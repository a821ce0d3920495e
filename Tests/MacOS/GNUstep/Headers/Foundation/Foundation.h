#pragma once

#include_next <Foundation/Foundation.h>

@interface NSFileManager (TarvexCompatibility)
- (NSArray*)URLsForDirectory:(NSSearchPathDirectory)directory inDomains:(NSSearchPathDomainMask)domains;
@end
