#include "screens/facesearch/cipher_hooks.h"

int EncryptUCHAR(const unsigned char*, const unsigned char*, int, unsigned char*) {
    return 0;
}

int DecryptUCHAR(const unsigned char*, const unsigned char*, int, unsigned char*) {
    return 0;
}

int DecryptRsaWithPrivateKey(const unsigned char*, int, unsigned char*) {
    return 0;
}
