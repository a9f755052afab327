<?xml version="1.0" encoding="UTF-8"?>
<!-- The header of a DICOM file for a terminal: tag, VR, name and value in columns; the items of a
     sequence stand below it, two columns further in. A blank line parts the groups of the data set.

     All white space that is written stands in select attributes: some XML libraries drop text nodes
     of white space alone when they load a stylesheet. No variable has content instead of a select
     attribute: a processor that collects the output in one text loses its end over each such
     variable, and the time then grows with the square of the number of elements. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text" encoding="UTF-8"/>

  <xsl:variable name="newline" select="'&#10;'"/>
  <xsl:variable name="spaces"
                select="'                                                                '"/>
  <xsl:variable name="lower" select="'abcdefghijklmnopqrstuvwxyz'"/>
  <xsl:variable name="upper" select="'ABCDEFGHIJKLMNOPQRSTUVWXYZ'"/>
  <!-- Where the values begin, unless tag and name need more room. -->
  <xsl:variable name="valueColumn" select="50"/>
  <xsl:variable name="toValueColumn"
                select="concat($newline, substring($spaces, 1, $valueColumn))"/>

  <xsl:template match="/">
    <xsl:apply-templates select="data-set/@charset"/>
    <xsl:apply-templates select="data-set/tag"/>
  </xsl:template>

  <!-- What the texts below were read in, where the header says. -->
  <xsl:template match="@charset">
    <xsl:value-of select="concat('Character set', substring($spaces, 1, $valueColumn - 13), .)"/>
    <xsl:if test="../@code-page">
      <xsl:value-of select="concat(substring('none declared', 1 div (. = '')),
                                   substring(' is not known', 1 div (. != '')),
                                   ', read in code page ', ../@code-page)"/>
    </xsl:if>
    <xsl:value-of select="concat($newline, $newline)"/>
  </xsl:template>

  <xsl:template match="tag">
    <xsl:param name="indent" select="''"/>
    <xsl:if test="$indent = '' and @grp != preceding-sibling::tag[1]/@grp">
      <xsl:value-of select="$newline"/>
    </xsl:if>
    <!-- The standard's name, where the header has it. What the dictionary does not know is named by
         its element number. Each of the four texts starts at character 1 (1 div true) or at infinity,
         where there is nothing of it. -->
    <xsl:variable name="isKnown" select="@name != @element and not(@title)"/>
    <xsl:variable name="isPrivate"
                  select="@name = @element and contains('13579bdf', substring(@grp, 4))"/>
    <xsl:variable name="name"
                  select="concat(@title,
                                 substring(concat(translate(substring(@name, 1, 1), $lower, $upper),
                                                  substring(@name, 2)), 1 div $isKnown),
                                 substring('Private', 1 div $isPrivate),
                                 substring('Unknown', 1 div not($isKnown or $isPrivate or @title)))"/>
    <xsl:variable name="left"
                  select="concat($indent, '(', @grp, ',', @element, ') ', @VR, ' ', $name)"/>
    <xsl:variable name="gap"
                  select="concat(substring($spaces, 1, $valueColumn - 2 - string-length($left)),
                                 '  ')"/>
    <xsl:choose>
      <xsl:when test="@VR = 'SQ'">
        <xsl:variable name="items" select="count(item)"/>
        <xsl:value-of select="concat($left, $gap, $items)"/>
        <xsl:value-of select="' item'"/>
        <xsl:if test="$items != 1">s</xsl:if>
        <xsl:value-of select="$newline"/>
        <xsl:for-each select="item">
          <xsl:value-of select="concat($indent, '- item ', position(), $newline)"/>
          <xsl:apply-templates select="tag">
            <xsl:with-param name="indent" select="concat($indent, '  ')"/>
          </xsl:apply-templates>
        </xsl:for-each>
      </xsl:when>
      <xsl:when test="values">
        <xsl:value-of select="concat($left, $gap)"/>
        <xsl:apply-templates select="values"/>
        <xsl:value-of select="$newline"/>
      </xsl:when>
      <xsl:when test="string(.) = ''">
        <xsl:value-of select="concat($left, $newline)"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="concat($left, $gap, .)"/>
        <xsl:if test="@meaning">
          <xsl:value-of select="concat(' (', @meaning, ')')"/>
        </xsl:if>
        <xsl:value-of select="$newline"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- Six values on a line, of numbers that are mostly short sixteen. -->
  <xsl:template match="values">
    <xsl:variable name="perLine"
                  select="6 + 10 * contains(' OB OW OB/OW UN US SS ', concat(' ', ../@VR, ' '))"/>
    <xsl:for-each select="value">
      <xsl:if test="position() != 1">\</xsl:if>
      <xsl:if test="position() != 1 and position() mod $perLine = 1">
        <xsl:value-of select="$toValueColumn"/>
      </xsl:if>
      <xsl:value-of select="."/>
    </xsl:for-each>
    <xsl:if test="@count != @total">
      <xsl:value-of select="concat($toValueColumn, '(the first ', @count, ' of ', @total,
                                   ' values)')"/>
    </xsl:if>
  </xsl:template>
</xsl:stylesheet>
