#ifndef OLMKIT_TESTS_UNIT_ROWNAME_H
#define OLMKIT_TESTS_UNIT_ROWNAME_H

// Names the instances of a test after the rows of its table.
inline constexpr auto rowName = [](const auto& row) { return row.param.name; };

#endif
