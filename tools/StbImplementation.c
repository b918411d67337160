/* The stb implementations, for builds where Debian's libstb cannot be linked (the Windows tools). */
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_RECT_PACK_IMPLEMENTATION
#include <stb_image.h>
#include <stb_image_write.h>
#include <stb_rect_pack.h>
