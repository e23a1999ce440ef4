#pragma once

// The letter case of a word, as FindTextCase reports it and SetCase applies
// it. SetCase leaves the text alone for none and mixed.
enum EWordCase : int
{
    eWordCaseNone = 0,
    eWordCaseLower = 1,
    eWordCaseUpper = 2,
    eWordCaseCapital = 3,
    eWordCaseMixed = 4,
};
