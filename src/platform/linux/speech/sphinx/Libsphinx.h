#pragma once

#include "platform/linux/libraries/SharedLibrary.h"

#include <pocketsphinx/pocketsphinx.h>
#include <sphinxbase/err.h>
#include <sphinxbase/ngram_model.h>

/// The built-in recogniser. It brings a numerics library and its Fortran runtime along.
namespace tavrin::libsphinx {

inline constinit const SharedLibrary pocketsphinx{"libpocketsphinx.so.3"};
inline constinit const SharedLibrary sphinxbase{"libsphinxbase.so.3"};

// NOLINTBEGIN(readability-identifier-naming): the libraries' own names
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_add_word)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_args)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_end_utt)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_free)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_get_hyp)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_get_in_speech)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_get_logmath)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_init)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_lookup_word)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_process_raw)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_set_lm)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_set_search)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_start_utt)
TAVRIN_LIBRARY_FUNCTION(pocketsphinx, ps_unset_search)
TAVRIN_LIBRARY_FUNCTION(sphinxbase, ckd_free)
TAVRIN_LIBRARY_FUNCTION(sphinxbase, cmd_ln_free_r)
TAVRIN_LIBRARY_FUNCTION(sphinxbase, cmd_ln_init)
TAVRIN_LIBRARY_FUNCTION(sphinxbase, cmd_ln_set_int_r)
TAVRIN_LIBRARY_FUNCTION(sphinxbase, err_set_callback)
TAVRIN_LIBRARY_FUNCTION(sphinxbase, err_set_logfp)
TAVRIN_LIBRARY_FUNCTION(sphinxbase, ngram_model_free)
TAVRIN_LIBRARY_FUNCTION(sphinxbase, ngram_model_read)
TAVRIN_LIBRARY_FUNCTION(sphinxbase, ngram_model_set_init)
TAVRIN_LIBRARY_FUNCTION(sphinxbase, ngram_model_set_interp)
// NOLINTEND(readability-identifier-naming)

} // namespace tavrin::libsphinx
