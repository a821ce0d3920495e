#pragma once

// The locale functions that the C++ library asks a Mac for; the C library here has them under <locale.h> and
// its like, and some not at all.

#include <locale.h>
#include <stddef.h>
#include <stdlib.h>
#include <time.h>
#include <wchar.h>

// The classes of characters, as the C library of BSD numbers them.
typedef unsigned int __uint32_t;
#define _CTYPE_A 0x00000100L
#define _CTYPE_C 0x00000200L
#define _CTYPE_D 0x00000400L
#define _CTYPE_L 0x00001000L
#define _CTYPE_P 0x00002000L
#define _CTYPE_S 0x00004000L
#define _CTYPE_U 0x00008000L
#define _CTYPE_X 0x00010000L
#define _CTYPE_B 0x00020000L
#define _CTYPE_R 0x00040000L

#ifdef __cplusplus
extern "C" {
#endif
long long strtoll_l(const char* text, char** end, int base, locale_t locale);
unsigned long long strtoull_l(const char* text, char** end, int base, locale_t locale);
int sscanf_l(const char* text, locale_t locale, const char* format, ...);
int snprintf_l(char* buffer, size_t size, locale_t locale, const char* format, ...);
int asprintf_l(char** text, locale_t locale, const char* format, ...);
size_t mbsnrtowcs_l(wchar_t* to, const char** from, size_t count, size_t length, mbstate_t* state,
                    locale_t locale);
size_t wcsnrtombs_l(char* to, const wchar_t** from, size_t count, size_t length, mbstate_t* state,
                    locale_t locale);
size_t mbrtowc_l(wchar_t* to, const char* from, size_t length, mbstate_t* state, locale_t locale);
size_t mbrlen_l(const char* from, size_t length, mbstate_t* state, locale_t locale);
int mbtowc_l(wchar_t* to, const char* from, size_t length, locale_t locale);
size_t mbsrtowcs_l(wchar_t* to, const char** from, size_t length, mbstate_t* state, locale_t locale);
size_t wcrtomb_l(char* to, wchar_t from, mbstate_t* state, locale_t locale);
wint_t btowc_l(int byte, locale_t locale);
int wctob_l(wint_t character, locale_t locale);
struct lconv* localeconv_l(locale_t locale);
#ifdef __cplusplus
}
#endif
