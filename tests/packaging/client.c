/* A client built against what was installed: prints webHttpPort and what a wrong value is answered. */
#include <kobd_client.h>
#include <stdio.h>

int main(void)
{
    const char* names[] = {"webHttpPort"};
    const char* values[] = {"70000"};
    char port[KOBD_VALUE_MAX];
    kobd_client* client = NULL;
    int code = kobd_client_open(&client);
    if (code == KOBD_SUCCESS) code = kobd_get(client, names[0], port, sizeof port);
    if (code != KOBD_SUCCESS) return fprintf(stderr, "%s\n", kobd_result_text(code)), 1;
    printf("%s, %s\n", port, kobd_result_text(kobd_set(client, names, values, 1)));
    kobd_client_close(client);
    return 0;
}
