/* A client as a C programmer writes it, compiled as C. */
#include <stdio.h>

#include "kobd_client.h"

/* Sets webHttpPort and reads it back into value; the first code that is not 0. */
int SetAndReadInC(const char* port, char* value, size_t size)
{
    const char* names[] = {"webHttpPort"};
    const char* values[] = {port};
    kobd_client* client = NULL;
    int code = kobd_client_open(&client);
    if (code != KOBD_SUCCESS) return code;
    code = kobd_set(client, names, values, 1);
    if (code == KOBD_SUCCESS) code = kobd_get(client, "webHttpPort", value, size);
    kobd_client_close(client);
    return code;
}
