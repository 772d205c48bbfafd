// Holds nothing: its target precompiles the header that all test programs share.
