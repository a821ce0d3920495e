#pragma once

// What the adapters use of the unified log, as Apple documents it. On a Mac the macro encodes the message in
// place; here it hands the format and the arguments to a function.

#include <stdint.h>

typedef struct os_log_s* os_log_t;

enum os_log_type_t : uint8_t {
    OS_LOG_TYPE_DEFAULT = 0x00,
    OS_LOG_TYPE_INFO = 0x01,
    OS_LOG_TYPE_DEBUG = 0x02,
    OS_LOG_TYPE_ERROR = 0x10,
    OS_LOG_TYPE_FAULT = 0x11,
};

extern "C" {

os_log_t os_log_create(const char* subsystem, const char* category);
void os_release(void* object);

void tarvexRecordOsLog(os_log_t log, os_log_type_t type, const char* format, ...);
}

#define os_log_error(log, format, ...)                                                                       \
    tarvexRecordOsLog(log, OS_LOG_TYPE_ERROR, format __VA_OPT__(, ) __VA_ARGS__)
