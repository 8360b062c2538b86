#pragma once

/// Functions with an explicit locale (xlocale(3)) that the C++ library's headers name and glibc lacks or
/// shows to GNU programs only.

#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>

extern "C" {
int asprintf_l(char** result, locale_t locale, const char* format, ...);
int snprintf_l(char* buffer, size_t size, locale_t locale, const char* format, ...);
int sscanf_l(const char* text, locale_t locale, const char* format, ...);
float strtof_l(const char* text, char** end, locale_t locale);
double strtod_l(const char* text, char** end, locale_t locale);
long double strtold_l(const char* text, char** end, locale_t locale);
long long strtoll_l(const char* text, char** end, int base, locale_t locale);
unsigned long long strtoull_l(const char* text, char** end, int base, locale_t locale);
}
