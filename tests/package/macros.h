// Macros of X11 and Windows, after the headers of others that do without them.
#include <QtGui/QtGui>

#include <zr8bitlib/zr8bitlib_version.h>

#if ZR8BITLIB_VERSION < QT_VERSION_CHECK(1, 1, 0)
#error "The version header names an old version"
#endif

#define Always 2
#define Bool int
#define False 0
#define None 0L
#define Status int
#define Success 0
#define True 1
#define Unsorted 0
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define min(a, b) (((a) < (b)) ? (a) : (b))
