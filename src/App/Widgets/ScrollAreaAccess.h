#pragma once

/// What a screen reader is told of an area that scrolls.
///
/// Qt's own answer takes every number of a child for a good one (`QAccessibleAbstractScrollArea` in 6.4).
/// A screen reader counts the children first and asks for each of them after it. When a scroll bar goes in
/// between, its question has a number too many, and the whole app ends with it.

namespace tarnwell {

/// From now on there is no child where the number is too high. For the program's start, after the
/// QApplication.
void makeScrollAreasSafeForScreenReaders();

}  // namespace tarnwell
