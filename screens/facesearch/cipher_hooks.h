#pragma once

/// Where ciphers would go. None is built in: the functions below do nothing and return 0, so with
/// encryption on there is a session key of length 0 and every frame goes out with length 0. An
/// installation that has a cipher gives the client its own hooks instead.
///
/// A hook returns how many bytes it has written, less than 0 for a failure. @p out has room for
/// @p length + kCipherRoom bytes.
int EncryptUCHAR(const unsigned char* key, const unsigned char* in, int length, unsigned char* out);
int DecryptUCHAR(const unsigned char* key, const unsigned char* in, int length, unsigned char* out);
/// Gives the session key.
int DecryptRsaWithPrivateKey(const unsigned char* in, int length, unsigned char* out);

constexpr int kCipherRoom = 1024;

struct CipherHooks {
    decltype(&EncryptUCHAR) encrypt = EncryptUCHAR;
    decltype(&DecryptUCHAR) decrypt = DecryptUCHAR;
    decltype(&DecryptRsaWithPrivateKey) decryptKey = DecryptRsaWithPrivateKey;
};
