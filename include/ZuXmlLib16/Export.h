#pragma once

/// Marks the classes and functions that the shared library exports; everything else stays hidden.
#define ZUXMLLIB16_API __attribute__((visibility("default")))
