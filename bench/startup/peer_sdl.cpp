// The page in a bare window, by SDL without acceleration: peer_sdl SHEET.bmp
#include "picture.h"

#include <SDL.h>

int main(int, char** argv)
{
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0"); // else it loads the whole of OpenGL
    SDL_Init(SDL_INIT_VIDEO);
    SDL_Window* window = SDL_CreateWindow("page", kPageLeft, kPageTop, kPageWidth, kPageHeight, SDL_WINDOW_BORDERLESS);
    SDL_Surface* sheet = SDL_LoadBMP(argv[1]);
    const auto show = [&] {
        const SDL_Rect page{ 0, 0, kPageWidth, kPageHeight };
        SDL_BlitSurface(sheet, &page, SDL_GetWindowSurface(window), nullptr);
        SDL_UpdateWindowSurface(window);
    };
    show();
    for (SDL_Event event; SDL_WaitEvent(&event) && event.type != SDL_QUIT;) {
        if (event.type == SDL_WINDOWEVENT && event.window.event == SDL_WINDOWEVENT_EXPOSED)
            show();
    }
}
