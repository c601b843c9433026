#pragma once

/// What came of verifying a signature.
enum class SignatureVerdict {
    Valid,
    Missing,         ///< There is no signature.
    NotASignature,   ///< The text is not a signature in minisign's format.
    LegacyAlgorithm, ///< The image itself was signed and not its sum.
    UnknownKey,      ///< None of the maker's keys has signed.
    Forged,          ///< The key has not made this signature with this trusted comment.
    OtherModel,      ///< The trusted comment does not name the model.
    ImageUnreadable, ///< The image cannot be read.
    OtherImage,      ///< The signature is that of another image.
    Interrupted,     ///< The program is leaving.
};
