// Exceptions of the planning library. Every message is the text the user sees.
#pragma once

#include <stdexcept>
#include <string>

namespace kv {

// Base of everything the library throws on purpose.
class EKvError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Operating-system file errors; the message carries the OS text and the path.
class EInOutError : public EKvError {
public:
    using EKvError::EKvError;
};

// A read past the end of a file (or a count larger than what is left).
class EReadError : public EKvError {
public:
    using EKvError::EKvError;
};

// A file that would need more memory than a small multiple of its size: no
// genuine file does, so it is refused as damaged before the memory is taken.
class EMemoryBudget : public EKvError {
public:
    using EKvError::EKvError;
};

// Wrong key or damaged enciphered text.
class EInvalidData : public EKvError {
public:
    EInvalidData() : EKvError("Invalid data") {}
};

// A damaged record: "Error in file structure " + path.
class EFileStructure : public EKvError {
public:
    explicit EFileStructure(const std::string& path) : EKvError("Error in file structure " + path) {}
};

// Index errors of the library's lists.
class EListError : public EKvError {
public:
    explicit EListError(long long index) : EKvError("List index out of bounds (" + std::to_string(index) + ")") {}
};

// A client file that needs a key when none is configured.
class EKeyMissing : public EKvError {
public:
    using EKvError::EKvError;
};

// A chart of accounts whose version is not the one expected for its product.
class EEntriesVersion : public EKvError {
public:
    using EKvError::EKvError;
};

} // namespace kv
