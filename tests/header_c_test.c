/* The public header is plain C. */
#include "yuvblit.h"

int yuvblit_header_compiles_as_c(void) {
  tagMIX_INFO info = {0};
  tagVideoFrame frame = {{0}};
  return (int)(sizeof info + sizeof frame);
}
