// Errors that carry an identifier.
#pragma once

#include <boost/exception/exception.hpp>
#include <exception>
#include <string>

#include "gateway/MessageId.hpp"
#include "gateway/messageText.hpp"
#include "support/ustring.hpp"

namespace foundation::core::except {

/// What all errors with an identifier have in common. The order of the virtual functions is part
/// of the interface: clone, rethrow and the destructors come first, with boost's clone_base.
class IMsgIDException : public boost::exception_detail::clone_base, public boost::exception {
 public:
  IMsgIDException(IMsgIDException const&) = default;
  IMsgIDException& operator=(IMsgIDException const&) = delete;
  ~IMsgIDException() noexcept override = default;

  virtual char const* what() const noexcept = 0;
  /// Text as UTF-16; narrow text is UTF-8, and what of it is ill-formed becomes U+FFFD.
  virtual std::u16string convert_str(std::u16string const& text) const = 0;
  virtual std::u16string convert_str(std::string const& text) const = 0;
  virtual std::u16string ToUstringImpl() const = 0;
  /// The full identifier, component and key joined by a colon.
  virtual std::string GetID() const = 0;
  /// The message text as UTF-16.
  virtual std::u16string GetUnicodeMessageTxt() const = 0;
  virtual MessageId const& GetBaseMsgIDObj() const = 0;

 protected:
  IMsgIDException() = default;
};

/// The error that the identifier type `Id` names. `Base` is the standard exception that it is.
template <class Id, class Base, class = void>
class Exception final : public IMsgIDException, public Base {
 public:
  explicit Exception(Id const& id) : id_(id), fullId_(fullIdentifier(id)) {}
  Exception(Exception const&) = default;
  Exception& operator=(Exception const&) = delete;
  ~Exception() noexcept override = default;

  /// A new copy on the heap, which shares the container of boost's error information.
  Exception const* clone() const override { return new Exception(*this); }
  [[noreturn]] void rethrow() const override { throw *this; }
  char const* what() const noexcept override { return messageText(fullId_); }
  std::u16string convert_str(std::u16string const& text) const override { return text; }
  std::u16string convert_str(std::string const& text) const override {
    std::u16string result;
    support::decodeUtf8(text, result);
    return result;
  }
  std::u16string ToUstringImpl() const override { return convert_str(std::string(what())); }
  std::string GetID() const override { return fullId_; }
  std::u16string GetUnicodeMessageTxt() const override { return ToUstringImpl(); }
  MessageId const& GetBaseMsgIDObj() const override { return id_; }

 private:
  MessageId id_;
  std::string fullId_;
};

/// The error of an identifier; the identifier itself is gone when it is thrown.
template <class Id>
Exception<Id, std::exception, void> makeException() {
  return Exception<Id, std::exception, void>(Id());
}
/// Throws it.
template <class Id>
[[noreturn]] void raise() {
  throw makeException<Id>();
}

}  // namespace foundation::core::except
