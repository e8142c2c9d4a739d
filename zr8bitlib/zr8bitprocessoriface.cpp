#include <zr8bitlib/zr8bitprocessoriface.h>

ZR8BitProcessorIface::~ZR8BitProcessorIface() = default;
