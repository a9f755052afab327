<?xml version="1.0" encoding="UTF-8"?>
<!-- The XML of the header itself, written as it was before it was parsed, to the last character. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="text" encoding="UTF-8"/>

  <xsl:variable name="newline" select="'&#10;'"/>
  <xsl:variable name="quote">"</xsl:variable>
  <xsl:variable name="marked">&amp;&lt;&gt;"'@</xsl:variable>

  <xsl:template match="/">
    <xsl:value-of select="concat('&lt;?xml version=', $quote, '1.0', $quote, ' ?&gt;', $newline,
                                 '&lt;data-set')"/>
    <xsl:if test="data-set/@charset">
      <xsl:value-of select="concat(' charset=', $quote)"/>
      <xsl:call-template name="escaped">
        <xsl:with-param name="text" select="string(data-set/@charset)"/>
      </xsl:call-template>
      <xsl:value-of select="$quote"/>
    </xsl:if>
    <xsl:if test="data-set/@code-page">
      <xsl:value-of select="concat(' code-page=', $quote, data-set/@code-page, $quote)"/>
    </xsl:if>
    <xsl:value-of select="concat('&gt;', $newline)"/>
    <xsl:apply-templates select="data-set/tag"/>
    <xsl:value-of select="concat('&lt;/data-set&gt;', $newline)"/>
  </xsl:template>

  <xsl:template match="tag">
    <xsl:value-of select="concat('&lt;tag grp=', $quote, @grp, $quote, ' element=', $quote,
                                 @element, $quote, ' VR=', $quote, @VR, $quote, ' VM=', $quote,
                                 @VM, $quote)"/>
    <xsl:value-of select="concat(' name=', $quote, @name, $quote)"/>
    <xsl:if test="@title">
      <xsl:value-of select="concat(' title=', $quote)"/>
      <xsl:call-template name="escaped">
        <xsl:with-param name="text" select="string(@title)"/>
      </xsl:call-template>
      <xsl:value-of select="$quote"/>
    </xsl:if>
    <xsl:if test="@meaning">
      <xsl:value-of select="concat(' meaning=', $quote)"/>
      <xsl:call-template name="escaped">
        <xsl:with-param name="text" select="string(@meaning)"/>
      </xsl:call-template>
      <xsl:value-of select="$quote"/>
    </xsl:if>
    <xsl:value-of select="'&gt;'"/>
    <xsl:choose>
      <xsl:when test="@VR = 'SQ'">
        <xsl:value-of select="$newline"/>
        <xsl:for-each select="item">
          <xsl:value-of select="concat('&lt;item&gt;', $newline)"/>
          <xsl:apply-templates select="tag"/>
          <xsl:value-of select="concat('&lt;/item&gt;', $newline)"/>
        </xsl:for-each>
      </xsl:when>
      <xsl:when test="values">
        <xsl:value-of select="concat('&lt;values count=', $quote, values/@count, $quote, ' total=',
                                     $quote, values/@total, $quote, '&gt;', $newline)"/>
        <xsl:for-each select="values/value">
          <xsl:value-of select="'&lt;value&gt;'"/>
          <xsl:call-template name="escaped"/>
          <xsl:value-of select="concat('&lt;/value&gt;', $newline)"/>
        </xsl:for-each>
        <xsl:value-of select="concat('&lt;/values&gt;', $newline)"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:call-template name="escaped"/>
      </xsl:otherwise>
    </xsl:choose>
    <xsl:value-of select="concat('&lt;/tag&gt;', $newline)"/>
  </xsl:template>

  <xsl:template name="escaped">
    <xsl:param name="text" select="string(.)"/>
    <xsl:choose>
      <!-- Nearly every text holds none of them. -->
      <xsl:when test="string-length(translate($text, $marked, '')) = string-length($text)">
        <xsl:value-of select="$text"/>
      </xsl:when>
      <xsl:when test="string-length($text) = 1">
        <xsl:choose>
          <xsl:when test="$text = '&amp;'">&amp;amp;</xsl:when>
          <xsl:when test="$text = '&lt;'">&amp;lt;</xsl:when>
          <xsl:when test="$text = '&gt;'">&amp;gt;</xsl:when>
          <xsl:when test="$text = $quote">&amp;quot;</xsl:when>
          <xsl:when test="$text = '@'">&amp;#64;</xsl:when>
          <xsl:otherwise>&amp;apos;</xsl:otherwise>
        </xsl:choose>
      </xsl:when>
      <xsl:otherwise>
        <!-- In halves, so that the depth of the calls does not grow with the text. -->
        <xsl:variable name="half" select="floor(string-length($text) div 2)"/>
        <xsl:call-template name="escaped">
          <xsl:with-param name="text" select="substring($text, 1, $half)"/>
        </xsl:call-template>
        <xsl:call-template name="escaped">
          <xsl:with-param name="text" select="substring($text, $half + 1)"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>
</xsl:stylesheet>
