#include "persist/TStream.h"

TStream::~TStream() = default;
