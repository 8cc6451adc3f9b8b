/* Loses memory, so that a leak checker has something to find. */

#include <stdlib.h>

int main(void)
{
    void *volatile lost = malloc(64);
    lost = NULL;
    return lost != NULL;
}
