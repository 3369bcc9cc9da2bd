#pragma once

#include "platform/linux/libraries/SharedLibrary.h"

#include <flite/flite.h>

extern "C" cst_lexicon* cmu_lex_init(void); // NOLINT(readability-identifier-naming): flite's.

/// The pronouncing dictionary of a speech synthesiser.
namespace tavrin::libflite {

inline constinit const SharedLibrary flite{"libflite.so.1"};
inline constinit const SharedLibrary lexicon{"libflite_cmulex.so.1"};

// NOLINTBEGIN(readability-identifier-naming): the libraries' own names
TAVRIN_LIBRARY_FUNCTION(flite, delete_val)
TAVRIN_LIBRARY_FUNCTION(flite, lex_lookup)
TAVRIN_LIBRARY_FUNCTION(flite, val_car)
TAVRIN_LIBRARY_FUNCTION(flite, val_cdr)
TAVRIN_LIBRARY_FUNCTION(flite, val_string)
TAVRIN_LIBRARY_FUNCTION(lexicon, cmu_lex_init)
// NOLINTEND(readability-identifier-naming)

} // namespace tavrin::libflite
