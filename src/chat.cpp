// The lobby chat: its line buffer, the input line and the chat screen. Clients send
// their lines to the host; the host shows every line and passes it on to all clients.
#include "chat.h"

#include <GL/gl.h>
#include <SDL/SDL.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "Main.h"
#include "Menu.h"
#include "Player.h"
#include "Sets.h"
#include "Teksti.h"
#include "audio.h"
#include "glapi.h"
#include "net.h"

char chatbuffer[chatRiveja][chatRivinKoko];
char kirjotusbuffer[kirjotusKoko];
int kirjotettavakirjain = 0;
int vasenkirjain = 0;
int vikakirjain = 0;
int ruudunleveys = 85;

namespace {

const int etuliite = 11;                      // the sender's name in 10 bytes and ':'
const int rivinTeksti = 73;                   // text characters on one chat line
const int viimeinenKohta = kirjotusKoko - 2;  // the cursor stops here; the zero follows
const int nakyvaMarginaali = 10;              // characters kept visible before the cursor

enum Valinta { kirjoita, kirjoitetaan, poistu };

// Where the screen's parts lie, at the chat's depth.
const float chatZ = -60, chatX = -36, tekstinKoko = 0.8f;
const float syoteY = -19.5f, valintaY = -22.5f, syoteX = -34, poistuX = -22;

void vierita() {
  if (kirjotettavakirjain - vasenkirjain > ruudunleveys) vasenkirjain = kirjotettavakirjain - ruudunleveys;
  vasenkirjain = std::min(vasenkirjain, kirjotettavakirjain);
  if (kirjotettavakirjain >= nakyvaMarginaali)
    vasenkirjain = std::min(vasenkirjain, kirjotettavakirjain - nakyvaMarginaali);
}

void piirraMerkki(float x, float y) {
  glBindTexture(GL_TEXTURE_2D, texture[tx::lightFlare]);
  glColor4f(1, 1, 1, 1);
  kuvaNelio(x - 0.6f, y - 0.6f, x + 0.6f, y + 0.6f, chatZ);
}

void piirraSyote(bool kirjoittaa) {
  char nakyva[chatRivinKoko + 2];
  const char* kursori = kirjoittaa ? "_" : "";
  std::snprintf(nakyva, sizeof nakyva, "%.*s%s", ruudunleveys, kirjotusbuffer + vasenkirjain, kursori);
  glColor4f(1, 1, 1, 1);
  gl_println(syoteX, syoteY, chatZ, nakyva, tekstinKoko);
}

// One pass of the keys; true when the screen is to close.
bool chatinSyote(int& valinta) {
  Player& p = player[0];
  if (valinta == kirjoitetaan) {
    if (entterpressed) {
      entterpressed = false;
      tekstiValmis();
    } else if (escpressed) {
      escpressed = false;
      tyhjennaKirjotusBufferi();
      luetaan = 0;
      valinta = kirjoita;
    } else if (luetaan >= 2) {
      luetaan = 1;
      kirjoitaNappi(luettunappi, modifier, sdlnappi);
    }
    return false;
  }
  bool toimi = false;
  if (entterpressed) {
    entterpressed = false;
    toimi = true;
  } else if (escpressed) {
    escpressed = false;
    valinta = poistu;
    toimi = true;
  } else if (p.pylos || p.palas || p.pleft || p.pright) {
    p.pylos = p.palas = p.pleft = p.pright = false;
    valinta = valinta == kirjoita ? poistu : kirjoita;
  }
  if (!toimi) return false;
  if (valinta == poistu) return true;
  tyhjennaKirjotusBufferi();
  luetaan = 1;
  valinta = kirjoitetaan;
  return false;
}

}  // namespace

bool kirjoitettava(char c) {
  const unsigned char u = static_cast<unsigned char>(c);
  return u >= 32 && u != 127 && c != ';';
}

void kirjoitaNappi(char nappi, int mod, int sym) {
  if ((nappi == 'v' && mod >= 64) || sym == SDLK_INSERT) return;  // paste and Insert do nothing
  if (nappi == 8) {
    const int pituus = static_cast<int>(std::strlen(kirjotusbuffer));
    if (pituus > 0) {
      kirjotusbuffer[pituus - 1] = 0;
      kirjotettavakirjain = std::min(pituus - 1, viimeinenKohta);
    }
  } else if (kirjoitettava(nappi)) {
    // At the last place a new character overwrites the previous one.
    kirjotusbuffer[kirjotettavakirjain] = nappi;
    kirjotusbuffer[kirjotettavakirjain + 1] = 0;
    if (kirjotettavakirjain < viimeinenKohta) ++kirjotettavakirjain;
  }
  vikakirjain = kirjotettavakirjain;
  vierita();
}

int rakennaChatViesti(unsigned char* viesti, const char* teksti) {
  std::memcpy(viesti, "x\xe4t", 3);
  const int nimi = static_cast<int>(strnlen(sets.nick[0], etuliite - 1));
  for (int i = 0; i < etuliite - 1; ++i) viesti[3 + i] = i < nimi ? sets.nick[0][i] : ' ';
  viesti[13] = ':';
  const int pituus = static_cast<int>(strnlen(teksti, kirjotusKoko));
  std::memcpy(viesti + 14, teksti, pituus);
  viesti[14 + pituus] = ';';
  viesti[15 + pituus] = 0;
  return pituus + 16;
}

void tekstiValmis() {
  unsigned char viesti[kirjotusKoko + 16];
  const int pituus = rakennaChatViesti(viesti, kirjotusbuffer);
  if (hostpeli) {
    lisaaRivi(reinterpret_cast<const char*>(viesti) + 3, pituus - 5);
    lahetaRiviKlienteille(viesti, pituus);
  } else {
    lahetaRiviHostille(viesti, pituus);  // the host sends it back to show
  }
  tyhjennaKirjotusBufferi();
}

void lisaaRivi(const char* line, int len) {
  len = std::max(len, 0);
  std::printf("lisätään rivi %.*s,%i\n", len, line, len);
  char alku[etuliite];
  for (int i = 0; i < etuliite; ++i) alku[i] = i < len ? line[i] : ' ';
  const char* teksti = line + std::min(len, etuliite);
  int jaljella = std::max(0, len - etuliite);
  do {
    std::memmove(chatbuffer[1], chatbuffer[0], sizeof chatbuffer - sizeof chatbuffer[0]);
    tyhjennaChatRivi(0);
    std::memcpy(chatbuffer[0], alku, etuliite);
    const int osa = std::min(jaljella, rivinTeksti);
    std::memcpy(chatbuffer[0] + etuliite, teksti, osa);
    teksti += osa;
    jaljella -= osa;
  } while (jaljella > 0);
}

void lahetaRiviKlienteille(const void* viesti, int len) {
  for (int c = 1; c < yhteyksia; ++c)
    if (tcpsoketit[c] && tila[c] >= 0) laheta(c, viesti, len);
}

void lahetaRiviHostille(const void* viesti, int len) {
  if (joinsoketti) laheta(hostiYhteys, viesti, len);
}

void alustaChat() {
  tyhjennaKirjotusBufferi();
  tyhjennaChatBufferi();
}

void tyhjennaKirjotusBufferi() {
  std::memset(kirjotusbuffer, 0, sizeof kirjotusbuffer);
  kirjotettavakirjain = vasenkirjain = vikakirjain = 0;
}

void tyhjennaChatBufferi() {
  for (int i = 0; i < chatRiveja; ++i) tyhjennaChatRivi(i);
}

void tyhjennaChatRivi(int rivi) {
  if (rivi < 0 || rivi >= chatRiveja) return;
  std::memset(chatbuffer[rivi], 0, chatRivinKoko);
}

void chatScreen() {
  const int unicode = SDL_EnableUNICODE(1);
  gamequited = entterpressed = spacepressed = started2 = false;
  luettunappi = 0;
  Player& p = player[0];
  p.pylos = p.palas = p.pleft = p.pright = false;
  int valinta = kirjoita;
  for (;;) {
    processEvents();
    if (started2 || gamequited) break;
    if (chatinSyote(valinta)) break;
    waitNextFrame();
    aulanVerkko();
    aulanPiirto(drawChatScreen, valinta);
    updateAudio();
  }
  luetaan = 0;
  SDL_EnableUNICODE(unicode);
}

void drawChatScreen(int selection) {
  aloitaValikonKuva(30, tekstiruudunVerho);  // the chat's depth makes its lines wider than the menus'
  glColor4f(1, 1, 1, 1);
  for (int i = 0; i < chatRiveja; ++i) gl_println(chatX, 2.0f * i - 17, chatZ, chatbuffer[i], tekstinKoko);
  piirraSyote(selection == kirjoitetaan);
  glColor4f(1, 0, 0, 1);
  gl_println(syoteX, valintaY, chatZ, "write", tekstinKoko);
  gl_println(poistuX, valintaY, chatZ, "exit", tekstinKoko);
  if (selection == kirjoitetaan)
    piirraMerkki(syoteX - 2, syoteY);
  else
    piirraMerkki((selection == poistu ? poistuX : syoteX) - 2, valintaY);
  lopetaValikonKuva();
}
