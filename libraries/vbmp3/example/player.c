/* Plays a sound file for some seconds, shows its lyrics line by line, and keeps a comment in its tag.
   usage: player FILE SECONDS [COMMENT] */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#ifdef _WIN32
#include <windows.h>
#define wait_ms(ms) Sleep(ms)
#else
#include <time.h>
#define wait_ms(ms) nanosleep(&(struct timespec){0, (ms) * 1000000L}, NULL)
#endif

#include "libraries/vbmp3/vbmp3.h"

/* The texts of the ID3v2 tag at any length: asked once for their size, once for themselves. */
static char* read_texts(const char* path, vbmp3_TagTexts* tag) {
    memset(tag, 0, sizeof *tag);
    tag->size = sizeof *tag;
    tag->genreNumber = 255;
    if (vbmp3_readTagTexts(path, VBMP3_TAG_ID3V2, tag) || vbmp3_getLastErrorNo() != VBMP3_ERROR_SIZE) return NULL;
    tag->bufferSize = tag->needed;
    tag->buffer = malloc(tag->bufferSize);
    if (tag->buffer != NULL) vbmp3_readTagTexts(path, VBMP3_TAG_ID3V2, tag);
    return tag->buffer;
}

static int keep_comment(const char* path, const char* comment) {
    vbmp3_TagTexts tag;
    char* texts = read_texts(path, &tag);
    tag.texts[VBMP3_TEXT_COMMENT] = comment;
    const int done = vbmp3_writeTagTexts(path, VBMP3_TAG_ID3V2, &tag);
    free(texts);
    texts = read_texts(path, &tag);
    if (done && texts != NULL) printf("%s: %s\n", tag.texts[VBMP3_TEXT_TITLE], tag.texts[VBMP3_TEXT_COMMENT]);
    free(texts);
    return done;
}

/* Lyrics inside the file, else those of a file beside it. */
static void find_lyrics(const char* path) {
    char beside[1024];
    const char* dot = strrchr(path, '.');
    if (vbmp3_readLyrics3Data(NULL, NULL) || dot == NULL) return;
    if (snprintf(beside, sizeof beside, "%.*s.lrc", (int)(dot - path), path) < (int)sizeof beside)
        vbmp3_setLyricsFile(beside);
}

int main(int argc, char** argv) {
    vbmp3_FileInfo info = {.size = sizeof info};
    vbmp3_LyricsLines lines = {.size = sizeof lines};
    int shown = -1;
    if (argc < 3 || !vbmp3_init()) return 2;
    const int kept = argc < 4 || keep_comment(argv[1], argv[3]);
    if (!kept || !vbmp3_open(argv[1], &info) || !vbmp3_play()) {
        fprintf(stderr, "%s: error %d\n", argv[1], vbmp3_getLastErrorNo());
        vbmp3_free();
        return 1;
    }
    printf("%s, %d:%02d\n", info.format, info.seconds / 60, info.seconds % 60);
    find_lyrics(argv[1]);
    while (vbmp3_getState(NULL) == 1 && vbmp3_getPositionMs() < 1000L * atoi(argv[2])) {
        if (vbmp3_getLyrics2(&lines) && lines.current != shown) puts(lines.rows[2]);
        shown = lines.current;
        wait_ms(20);
    }
    vbmp3_free();
    return 0;
}
