#pragma once
// Qt's macros convert between integers, of which the compiler says nothing as long as they are used
// by what is part of the system, too.
#pragma GCC system_header
#include <QTest>

/// How long QTRY_VERIFY() and its like wait, in milliseconds: five seconds, times
/// ZORBIN_TEST_PATIENCE.
int patienceMs();

/// ZORBIN_TEST_PATIENCE from the environment: by how much a loaded machine may be slower. 1 or
/// more.
int patience();

#undef QTRY_VERIFY
#define QTRY_VERIFY(expression) QTRY_VERIFY_WITH_TIMEOUT(expression, patienceMs())
#undef QTRY_COMPARE
#define QTRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, patienceMs())
