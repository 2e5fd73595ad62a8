// Holds nothing: it is here so that the precompiled header of the tests is made.
