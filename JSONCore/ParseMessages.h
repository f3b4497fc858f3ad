#pragma once

/// What a parse can fail with. The texts are the keys under which an application translates them.
namespace quelm::parsemessages {

inline constexpr char expectedValue[] = "Se esperaba un valor";
inline constexpr char unexpectedValue[] = "Valor inesperado";
inline constexpr char invalidNumber[] = "Número inválido";
inline constexpr char unterminatedString[] = "Texto sin cerrar";
inline constexpr char controlCharacter[] = "Carácter de control sin escapar dentro de un texto";
inline constexpr char invalidEscape[] = "Secuencia de escape inválida";
inline constexpr char incompleteUnicodeEscape[] = "Escape \\u incompleto";
inline constexpr char invalidHexDigit[] = "Dígito hexadecimal inválido en escape \\u";
inline constexpr char loneSurrogate[] = "Surrogate UTF-16 sin pareja";
inline constexpr char invalidSurrogate[] = "Surrogate UTF-16 inválido";
inline constexpr char invalidScalar[] = "Escape Unicode inválido";
inline constexpr char expectedKey[] = "Se esperaba una clave entre comillas";
inline constexpr char expectedColon[] = "Se esperaba ':' después de la clave";
inline constexpr char expectedCommaOrBrace[] = "Se esperaba ',' o '}'";
inline constexpr char expectedCommaOrBracket[] = "Se esperaba ',' o ']'";
inline constexpr char unclosedObject[] = "Falta '}' para cerrar el objeto";
inline constexpr char unclosedArray[] = "Falta ']' para cerrar el arreglo";
inline constexpr char contentAfterRoot[] = "Contenido inesperado después del valor raíz";

} // namespace quelm::parsemessages
