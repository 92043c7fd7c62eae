// The lobby chat: lines typed on any machine go through the host to every client.
#pragma once

const int chatRiveja = 23;
const int chatRivinKoko = 85;  // 11-byte sender prefix, at most 73 characters, the zero
const int kirjotusKoko = 500;

extern char chatbuffer[chatRiveja][chatRivinKoko];  // line 0 is the newest
extern char kirjotusbuffer[kirjotusKoko];           // the line being typed
extern int kirjotettavakirjain;                     // cursor: where the next character goes
extern int vasenkirjain;                            // first character shown
extern int vikakirjain;                             // last character, kept with the cursor
extern int ruudunleveys;                            // characters that fit on the input line

// Runs the chat screen until the user leaves it or the game starts; the lobby keeps
// running underneath.
void chatScreen();
void drawChatScreen(int selection);
// The typed line is finished: shown and sent, and the input cleared.
void tekstiValmis();
// Adds a line that starts with its 11-byte sender prefix, `len` bytes in all.
void lisaaRivi(const char* line, int len);
// A whole chat message: host to every client, client to its host.
void lahetaRiviKlienteille(const void* viesti, int len);
void lahetaRiviHostille(const void* viesti, int len);
// Builds the chat message of `teksti` from the first player's name; returns its length.
int rakennaChatViesti(unsigned char* viesti, const char* teksti);
// One key of the chat's input line (backspace, or a character at the cursor), with
// the scroll that keeps the cursor in view.
void kirjoitaNappi(char nappi, int mod, int sym);
void alustaChat();
void tyhjennaKirjotusBufferi();
void tyhjennaChatBufferi();
void tyhjennaChatRivi(int rivi);

// A typed character that a line may hold: printable, and never ';', which ends a
// message on the wire.
bool kirjoitettava(char c);
