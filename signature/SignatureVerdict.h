#pragma once

/// The result of verifying a signature.
enum class SignatureVerdict {
    Valid,
    Missing,         ///< There is no signature.
    NotASignature,   ///< The text is not a signature in minisign's format.
    LegacyAlgorithm, ///< The image itself was signed instead of its sum.
    UnknownKey,      ///< None of the maker's keys has signed.
    Forged,          ///< The signature and its trusted comment were not made with the key.
    OtherModel,      ///< The trusted comment does not name the model.
    ImageUnreadable, ///< The image cannot be read.
    OtherImage,      ///< The signature is that of another image.
    Interrupted,     ///< The program is shutting down.
};
